#include "platform/pipewire/client_rights.h"

#include <pipewire/pipewire.h>

namespace tolvenary
{

struct ClientRights::Events {
    static const pw_client_events *table()
    {
        static const pw_client_events events = [] {
            pw_client_events made{};
            made.version = PW_VERSION_CLIENT_EVENTS;
            made.permissions = [](void *data, std::uint32_t, std::uint32_t count, const pw_permission *permissions) {
                static_cast<ClientRights *>(data)->told(count, permissions);
            };
            return made;
        }();
        return &events;
    }
};

ClientRights::ClientRights(pw_core *core, std::function<void()> changed)
    : m_core(core), m_changed(std::move(changed)), m_hook(makeHook())
{
    pw_client_add_listener(pw_core_get_client(m_core), m_hook.get(), Events::table(), this);
    ask();
}

ClientRights::~ClientRights() = default;

void ClientRights::ask()
{
    constexpr std::uint32_t all = 0xffff;
    pw_client_get_permissions(pw_core_get_client(m_core), 0, all);
}

void ClientRights::told(std::uint32_t count, const pw_permission *permissions)
{
    ++m_answers;
    for (std::uint32_t i = 0; i < count; ++i) {
        // Other clients' streams fall under the entry for "any object".
        if (permissions[i].id == PW_ID_ANY)
            m_mayCapture = (permissions[i].permissions & (PW_PERM_R | PW_PERM_X)) == (PW_PERM_R | PW_PERM_X);
    }
    m_changed();
}

} // namespace tolvenary
