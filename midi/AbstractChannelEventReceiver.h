// Takes the decoded events of one MIDI channel, or of all, and hands them on to listeners.
// Threads: events on the thread of the decoder; listeners come and go while it does not run.
#pragma once

#include "base/Realtime.h"

#include <cstdint>
#include <vector>

class AbstractChannelEventReceiver {
public:
    class Listener {
    public:
        virtual void channelPressure(float) noexcept REALTIME {}            // 0 to 1
        virtual void polyPressure(std::int32_t, float) noexcept REALTIME {} // note; 0 to 1
        virtual void controlChange(std::int32_t, std::int32_t, float) noexcept REALTIME {}
        virtual void modWheel(float) noexcept REALTIME {} // controller 1, which comes as a controller too
        virtual void noteOff(std::int32_t, float) noexcept REALTIME {}
        virtual void noteOn(std::int32_t, float) noexcept REALTIME {}
        virtual void pitchBend(float) noexcept REALTIME {} // -0.5 to 0.5

    protected:
        ~Listener() = default;
    };

    AbstractChannelEventReceiver() = default;
    AbstractChannelEventReceiver(const AbstractChannelEventReceiver&) = delete;
    AbstractChannelEventReceiver& operator=(const AbstractChannelEventReceiver&) = delete;
    virtual ~AbstractChannelEventReceiver() = default;

    void addListener(Listener& listener); // not owned
    void removeListener(Listener& listener);

    // Events. All but rawMessage and programChange reach the listeners.
    virtual void rawMessage(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) noexcept REALTIME;
    virtual void channelPressure(float pressure) noexcept REALTIME;
    virtual void polyPressure(std::int32_t note, float pressure) noexcept REALTIME;
    virtual void controlChange(std::int32_t controller, std::int32_t raw, float value) noexcept REALTIME; // raw / 127
    virtual void noteOff(std::int32_t note, float velocity) noexcept REALTIME;
    virtual void noteOn(std::int32_t note, float velocity) noexcept REALTIME;
    virtual void pitchBend(float position) noexcept REALTIME;
    virtual void programChange(std::int32_t bank, std::int32_t program) noexcept REALTIME;

private:
    std::vector<Listener*> listeners; // not owned
};
