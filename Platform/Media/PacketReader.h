#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Media/ClipInfo.h"

namespace qv {

/// Reads a clip's packets and decodes nothing. One thread at a time.
class PacketReader {
  public:
    /// Nil with one line that names file and cause in `error`, when it is given.
    static std::unique_ptr<PacketReader> open(const std::string& path, std::string* error = nullptr);
    ~PacketReader();

    /// What a writer needs for copying them.
    std::shared_ptr<const SourceStreams> streams() const;
    /// The stream that players take of pictures, and of sound; -1 when there is none.
    int videoStream() const;
    int soundStream() const;
    /// Samples a second of the sound.
    int soundRate() const;
    /// Seconds per unit of a stream's times.
    Rational timeBase(int stream) const;
    /// Hash, 16 hexadecimal digits, of what a decoder of a stream has to know before the first packet.
    std::string decoderConfiguration(int stream) const;

    /// The next packet of any stream, in the file's order. Nothing at the end and after damage, then with
    /// error() set.
    std::optional<TimedPacket> next();
    /// One line that names file and cause, once reading has failed.
    const std::string& error() const;

  private:
    struct State;
    explicit PacketReader(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace qv
