#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Host/CommandLine/JSON.h"

namespace qv::host {

/// A request of the page. `path` is what follows the token: "api/frame".
struct StudioRequest {
    std::string method, path, body;
    std::map<std::string, std::string> parameters = {};

    /// Empty when it is not given.
    std::string parameter(const std::string& name) const;
};

/// What it is answered.
struct StudioAnswer {
    int status = 200;
    std::string type = "text/plain; charset=utf-8";
    std::string body = {};
    std::vector<std::pair<std::string, std::string>> headers = {};

    static StudioAnswer json(const Json& json);
};

/// Serves one page on 127.0.0.1 and nobody else: who does not know the token, calls this machine by another
/// name, or comes from another page, is told nothing.
class StudioServer {
  public:
    using Answer = std::function<StudioAnswer(const StudioRequest&)>;

    /// Takes the port, or without one (0) the studio's usual one, so that the browser finds what it
    /// remembers, or else any that is free. `answer` is called on several threads at once and must not throw.
    /// Fails as usage when the port is taken.
    StudioServer(int port, Answer answer);
    ~StudioServer();

    /// With the token.
    std::string address() const;
    /// An address that leads there once. Whoever sees the browser's command line can do nothing with it
    /// later.
    std::string openingAddress() const;

    /// Tells all open pages. Thread-safe.
    void send(const std::string& event, const Json& data);
    /// Whether a page was open and none has been for as long as a reload takes. Thread-safe.
    bool isLeft() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace qv::host
