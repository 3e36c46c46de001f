#include "platform/pipewire/linker.h"

#include <cerrno>
#include <pipewire/pipewire.h>

namespace tolvenary
{

struct Linker::Owned {
    Linker &linker;
    OSStatus status = noErr;
    bool isAwaited = true;
    bool isLost = false; ///< to be made again
    PwHandle<pw_proxy> proxy;
    PwHandle<spa_hook> hook = makeHook(); // declared last, both: taken out before the proxy goes
    PwHandle<spa_hook> linkHook = makeHook();

    void listen();
    void refused(int result);
    void stateChanged(pw_link_state state);
    void removed();

  private:
    void setAwaited(bool awaited);
};

namespace
{

PwHandle<pw_proxy> makeLink(pw_core *core, const GraphLink &link)
{
    const std::string output = std::to_string(link.outputPort);
    const std::string input = std::to_string(link.inputPort);
    const std::array items{spa_dict_item{PW_KEY_LINK_OUTPUT_PORT, output.c_str()},
                           spa_dict_item{PW_KEY_LINK_INPUT_PORT, input.c_str()}};
    const spa_dict properties{0, static_cast<std::uint32_t>(items.size()), items.data()};
    return PwHandle<pw_proxy>(static_cast<pw_proxy *>(
        pw_core_create_object(core, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties, 0)));
}

} // namespace

void Linker::Owned::listen()
{
    static const pw_proxy_events events = [] {
        pw_proxy_events made{};
        made.version = PW_VERSION_PROXY_EVENTS;
        made.error = [](void *data, int, int result, const char *) { static_cast<Owned *>(data)->refused(result); };
        made.removed = [](void *data) { static_cast<Owned *>(data)->removed(); };
        return made;
    }();
    static const pw_link_events linkEvents = [] {
        pw_link_events made{};
        made.version = PW_VERSION_LINK_EVENTS;
        made.info = [](void *data, const pw_link_info *info) { static_cast<Owned *>(data)->stateChanged(info->state); };
        return made;
    }();
    pw_proxy_add_listener(proxy.get(), hook.get(), &events, this);
    pw_proxy_add_object_listener(proxy.get(), linkHook.get(), &linkEvents, this);
}

// If somebody else has made the same link, such as a user who puts back by hand what was taken away by mistake, that
// one will do; ours is asked for again in case that it goes.
void Linker::Owned::refused(int result)
{
    setAwaited(false);
    if (result == -EEXIST)
        isLost = true;
    else
        status = result < 0 ? result : -EIO;
    linker.m_changed();
}

void Linker::Owned::stateChanged(pw_link_state state)
{
    setAwaited(state >= PW_LINK_STATE_INIT && state < PW_LINK_STATE_PAUSED);
    // A link that failed may still succeed, when the other side offers another format.
    isLost = state == PW_LINK_STATE_ERROR;
    if (state != PW_LINK_STATE_ERROR)
        status = noErr;
    else if (status == noErr)
        status = -EIO;
    if (!isAwaited)
        linker.m_changed();
}

// By somebody else, or because one of its ports has gone, which the registry may tell a little later. A link that could
// not be made in the first place is removed, too, and would fail again.
void Linker::Owned::removed()
{
    if (status != noErr || isLost)
        return;
    status = -ENOLINK;
    setAwaited(false);
    isLost = true;
    linker.m_changed();
}

void Linker::Owned::setAwaited(bool awaited)
{
    isAwaited = awaited;
    linker.m_awaitedInputs.reset();
}

Linker::Linker(pw_core *core, std::function<void()> changed) : m_core(core), m_changed(std::move(changed)) {}

Linker::~Linker() = default;

void Linker::setWanted(const std::set<GraphLink> &wanted, LinkPauses::Time now)
{
    m_awaitedInputs.reset();
    m_pauses.keep(wanted);
    for (const auto &[link, owned] : m_owned) {
        if (owned->isLost)
            m_pauses.lost(link, now);
        else
            m_pauses.recovered(link);
    }
    std::erase_if(
        m_owned, [&](const auto &entry) { return !wanted.contains(entry.first) || m_pauses.isOver(entry.first, now); });
    for (const GraphLink &link : wanted) {
        if (m_owned.contains(link))
            continue;
        m_pauses.made(link, now);
        auto owned = std::make_unique<Owned>(Owned{.linker = *this, .proxy = makeLink(m_core, link)});
        if (owned->proxy)
            owned->listen();
        else
            owned->status = -EIO;
        m_owned.emplace(link, std::move(owned));
    }
}

void Linker::forgetPort(GlobalId port)
{
    m_awaitedInputs.reset();
    m_pauses.forgetPort(port);
    std::erase_if(
        m_owned, [port](const auto &entry) { return entry.first.outputPort == port || entry.first.inputPort == port; });
}

const std::set<GlobalId> &Linker::awaitedInputs()
{
    if (m_awaitedInputs)
        return *m_awaitedInputs;
    std::set<GlobalId> &inputs = m_awaitedInputs.emplace();
    for (const auto &[link, owned] : m_owned) {
        if (owned->status == noErr && owned->isAwaited)
            inputs.insert(link.inputPort);
    }
    return inputs;
}

OSStatus Linker::statusOf(const GraphLink &link) const
{
    const auto found = m_owned.find(link);
    if (found == m_owned.end())
        return noErr;
    return found->second->status == noErr && found->second->isAwaited ? -EINPROGRESS : found->second->status;
}

} // namespace tolvenary
