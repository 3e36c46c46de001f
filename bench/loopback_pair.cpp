#include "bench/loopback_pair.h"

#include <csignal>

namespace tolvenary::bench
{

namespace
{

/// Both streams of one loopback, under names of their own so that whoever watches the graph knows them.
session::Arguments loopback(const std::string &name, const std::string &source, const std::string &captureProperties)
{
    return {"pw-loopback", "--capture=" + source, "--playback=blackhole_2ch",
            "--capture-props={ node.name=" + name + "-in " + captureProperties + " }",
            "--playback-props={ node.name=" + name + "-out }"};
}

} // namespace

LoopbackPair::LoopbackPair(session::PrivateSession &session)
    : m_microphone(session.start(loopback("loopback-microphone", "microphone", ""))),
      m_speakers(session.start(loopback("loopback-speakers", "speakers", "stream.capture.sink=true")))
{
}

void LoopbackPair::end() const
{
    m_microphone->signal(SIGTERM);
    m_speakers->signal(SIGTERM);
}

} // namespace tolvenary::bench
