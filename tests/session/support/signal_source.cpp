#include "tests/session/support/signal_source.h"

#include <array>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <numbers>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace tolvenary::session
{

namespace
{

class Steady final : public SignalSource
{
  public:
    explicit Steady(float level) : m_level(level) {}
    float at(std::uint64_t /*frame*/, double /*rate*/) const override { return m_level; }

  private:
    float m_level;
};

class Tone final : public SignalSource
{
  public:
    Tone(double frequency, double amplitude) : m_frequency(frequency), m_amplitude(amplitude) {}

    float at(std::uint64_t frame, double rate) const override
    {
        const double turns = m_frequency * static_cast<double>(frame) / rate;
        return static_cast<float>(m_amplitude * std::sin(2 * std::numbers::pi * (turns - std::floor(turns))));
    }

  private:
    double m_frequency;
    double m_amplitude;
};

class Clicks final : public SignalSource
{
  public:
    Clicks(std::uint64_t period, float amplitude) : m_period(period), m_amplitude(amplitude) {}
    float at(std::uint64_t frame, double /*rate*/) const override
    {
        return frame % m_period == m_period / 2 ? m_amplitude : 0.0F;
    }

  private:
    std::uint64_t m_period;
    float m_amplitude;
};

/// Plucked notes over four chords, each note ringing on while the next begins.
class Tune final : public SignalSource
{
  public:
    explicit Tune(double amplitude) : m_amplitude(amplitude) {}

    float at(std::uint64_t frame, double rate) const override
    {
        const double time = static_cast<double>(frame) / rate;
        const auto beat = static_cast<std::uint64_t>(time / noteLength);
        double sum = 0;
        for (std::uint64_t back = 0; back < 4 && back <= beat; ++back)
            sum += pluck(frequency(beat - back), time - static_cast<double>(beat - back) * noteLength);
        return static_cast<float>(m_amplitude * 0.4 * sum);
    }

  private:
    static double frequency(std::uint64_t beat)
    {
        static constexpr std::array<std::array<int, 8>, 4> chords = {{{0, 7, 12, 16, 19, 16, 12, 7},
                                                                      {-3, 4, 9, 12, 16, 12, 9, 4},
                                                                      {-7, 0, 5, 9, 12, 9, 5, 0},
                                                                      {-5, 2, 7, 11, 14, 11, 7, 2}}};
        return 220.0 * std::exp2(chords[beat / 8 % 4][beat % 8] / 12.0);
    }

    static double pluck(double frequency, double age)
    {
        const double phase = 2 * std::numbers::pi * frequency * age;
        return std::exp(-4 * age) * std::min(1.0, age * 200) * (std::sin(phase) + 0.4 * std::sin(2 * phase));
    }

    static constexpr double noteLength = 0.2;
    double m_amplitude;
};

/// A recorded voice. Between two of its samples runs a straight line: it has only to sound like speech.
class Speech final : public SignalSource
{
  public:
    explicit Speech(const std::string &file)
    {
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
        constexpr std::size_t headerSize = 44;
        constexpr std::size_t rateOffset = 24;
        if (bytes.size() < headerSize + 4)
            throw std::runtime_error("no speech in " + file);
        std::uint32_t rate = 0;
        std::memcpy(&rate, bytes.data() + rateOffset, sizeof rate);
        m_rate = rate;
        std::vector<std::int16_t> samples((bytes.size() - headerSize) / 2);
        std::memcpy(samples.data(), bytes.data() + headerSize, samples.size() * 2);
        m_samples.reserve(samples.size());
        for (const std::int16_t sample : samples)
            m_samples.push_back(static_cast<float>(sample) / 32768.0F);
    }

    float at(std::uint64_t frame, double rate) const override
    {
        const double exact =
            std::fmod(static_cast<double>(frame) * m_rate / rate, static_cast<double>(m_samples.size()));
        const auto index = static_cast<std::size_t>(exact);
        const auto fraction = static_cast<float>(exact - static_cast<double>(index));
        const float next = m_samples[(index + 1) % m_samples.size()];
        return m_samples[index] + fraction * (next - m_samples[index]);
    }

  private:
    double m_rate = 0;
    std::vector<float> m_samples;
};

std::vector<std::string> fields(const std::string &description)
{
    std::vector<std::string> found;
    std::istringstream stream(description);
    for (std::string field; std::getline(stream, field, ':');)
        found.push_back(field);
    return found;
}

} // namespace

std::unique_ptr<SignalSource> SignalSource::parse(const std::string &description)
{
    const auto parts = fields(description);
    const std::string kind = parts.empty() ? std::string() : parts.front();
    if (kind == "silence")
        return std::make_unique<Steady>(0.0F);
    if (kind == "steady" && parts.size() == 2)
        return std::make_unique<Steady>(std::stof(parts[1]));
    if (kind == "tone" && parts.size() == 3)
        return std::make_unique<Tone>(std::stod(parts[1]), std::stod(parts[2]));
    if (kind == "clicks" && parts.size() == 3)
        return std::make_unique<Clicks>(std::stoull(parts[1]), std::stof(parts[2]));
    if (kind == "tune" && parts.size() == 2)
        return std::make_unique<Tune>(std::stod(parts[1]));
    if (kind == "speech" && parts.size() == 2)
        return std::make_unique<Speech>(parts[1]);
    throw std::runtime_error("not a sound: " + description);
}

} // namespace tolvenary::session
