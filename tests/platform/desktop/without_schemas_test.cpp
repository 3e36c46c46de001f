#include "platform/desktop/animation_settings.h"
#include "platform/desktop/microphone_settings.h"
#include "tests/platform/desktop/temporary_folder.h"

#include <gtest/gtest.h>

namespace tolvenary
{

namespace
{

class WithoutSchemas : public testing::Test
{
  protected:
    WithoutSchemas()
    {
        setenv("XDG_DATA_HOME", m_folder.path().c_str(), 1);
        setenv("XDG_DATA_DIRS", m_folder.path().c_str(), 1);
        unsetenv("GSETTINGS_SCHEMA_DIR");
    }

  private:
    const TemporaryFolder m_folder;
};

TEST_F(WithoutSchemas, aDesktopWithoutTheSettingDisablesNothing)
{
    EXPECT_FALSE(isMicrophoneDisabledInSettings());
}

TEST_F(WithoutSchemas, aDesktopWithoutTheSettingAnimates)
{
    const AnimationSettings settings([] {});
    EXPECT_FALSE(settings.areAnimationsOff());
}

} // namespace

} // namespace tolvenary
