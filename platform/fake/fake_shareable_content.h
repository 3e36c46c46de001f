#pragma once

#include "platform/fake/fake_answer.h"
#include "platform/fake/fake_calls.h"
#include "platform/shareable_content.h"

namespace tolvenary
{

class FakeShareableContent final : public SCShareableContent
{
  public:
    using Applications = Result<std::vector<SCRunningApplication>>;

    explicit FakeShareableContent(FakeCalls &calls) : m_calls(calls) {}

    void getShareableContentExcludingDesktopWindows(bool excludeDesktopWindows, bool onScreenWindowsOnly,
                                                    CompletionHandler completionHandler) override
    {
        m_calls.note("getShareableContentExcludingDesktopWindows");
        askedToExcludeDesktopWindows = excludeDesktopWindows;
        askedForOnScreenWindowsOnly = onScreenWindowsOnly;
        applications.request(std::move(completionHandler));
    }

    FakeAnswer<Applications> applications{Applications()};
    bool askedToExcludeDesktopWindows = false;
    bool askedForOnScreenWindowsOnly = false;

  private:
    FakeCalls &m_calls;
};

} // namespace tolvenary
