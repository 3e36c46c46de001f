#include "tests/session/support/temporary_directory.h"

#include <cstdlib>
#include <stdexcept>

namespace tolvenary::session
{

TemporaryDirectory::TemporaryDirectory()
{
    // Short, because the sockets below it must fit into 108 bytes.
    std::string name = "/tmp/tolvenary-XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("cannot make a temporary directory");
    m_path = name;
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace tolvenary::session
