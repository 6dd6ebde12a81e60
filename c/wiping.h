// Strings with secrets: nothing of them stays in memory that is given back.
#pragma once

#include <pkider/c/pkider.h>

#include <string>

namespace pkider::c {

/// Overwrites the characters and the spare room of a string; it is empty after that.
void wipe(std::string& secret) noexcept;

/// A sink that appends to a string, and wipes the room that the string grows out of.
class wiping_sink_t {
  public:
    explicit wiping_sink_t(std::string& secret) : m_secret(secret) {}
    wiping_sink_t(const wiping_sink_t&) = delete;
    wiping_sink_t& operator=(const wiping_sink_t&) = delete;

    pkider_sink_t sink() { return {write, this}; }

    /// The first fault of a write, or PKIDER_OK.
    pkider_status_t status() const { return m_status; }

  private:
    static int write(void* context, const uint8_t* bytes, uint64_t count);
    void append(const uint8_t* bytes, uint64_t count);

    std::string& m_secret;
    pkider_status_t m_status = PKIDER_OK;
};

} // namespace pkider::c
