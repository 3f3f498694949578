#include "Host/Studio/StudioServer.h"

#include <sys/random.h>

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <set>
#include <thread>

#include "Host/CommandLine/Failure.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kHost = "127.0.0.1";
constexpr int kUsualPort = 17170;
/// A project of some hundred clips has some ten thousand bytes.
constexpr std::size_t kMostBytes = 1 << 20;
/// A browser opens six connections for a page, of which one is for its events.
constexpr std::size_t kThreads = 24;
/// How often an open page is looked after, and how long a reload may take.
constexpr std::chrono::milliseconds kBeat{500};
constexpr std::chrono::seconds kGrace{5};

/// Nothing but this server's own files, and nothing to other places.
constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; media-src 'self'; "
    "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

/// 128 bits that nobody can guess.
std::string secret() {
    std::array<unsigned char, 16> bytes;
    if (::getentropy(bytes.data(), bytes.size()) != 0) fail(ExitCode::internal, "there are no random bytes");
    return fmt::format("{:02x}", fmt::join(bytes, ""));
}

/// Takes the same time wherever they differ.
bool isSame(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    unsigned difference = 0;
    for (std::size_t i = 0; i < a.size(); ++i) difference |= unsigned(a[i]) ^ unsigned(b[i]);
    return difference == 0;
}

/// One page's events that it has not been sent.
struct Listener {
    std::deque<std::string> waiting;
};

}  // namespace

std::string StudioRequest::parameter(const std::string& name) const {
    const auto found = parameters.find(name);
    return found == parameters.end() ? std::string() : found->second;
}

StudioAnswer StudioAnswer::json(const Json& json) {
    return {.type = "application/json", .body = json.dump(-1, ' ', false, Json::error_handler_t::replace)};
}

struct StudioServer::State {
    Answer answer;
    std::string token = secret(), host;
    std::mutex openingMutex;
    std::string opening = secret();  ///< empty once it was used

    mutable std::mutex mutex;  ///< of what follows
    std::condition_variable sent;
    std::set<std::shared_ptr<Listener>> listeners;
    bool hadPage = false;
    Clock::time_point left = {};

    httplib::Server server;
    std::thread thread;

    bool admits(const httplib::Request& request);
    bool takesOpening(const httplib::Request& request, httplib::Response& response);
    void respond(const httplib::Request& request, httplib::Response& response);
    void streamEvents(httplib::Response& response);
    void leave(const std::shared_ptr<Listener>& listener);
};

bool StudioServer::State::admits(const httplib::Request& request) {
    if (request.get_header_value_count("Host") != 1 || request.get_header_value("Host") != host) return false;
    const std::string origin = request.get_header_value("Origin");
    if (!origin.empty() && origin != "http://" + host) return false;
    const std::string prefix = "/" + token + "/";
    return isSame(std::string_view(request.path).substr(0, prefix.size()), prefix);
}

bool StudioServer::State::takesOpening(const httplib::Request& request, httplib::Response& response) {
    if (request.method != "GET" || request.get_header_value("Host") != host) return false;
    std::scoped_lock lock(openingMutex);
    if (opening.empty() || !isSame(request.path, "/open/" + opening)) return false;
    opening.clear();
    response.set_redirect("/" + token + "/", 303);
    return true;
}

void StudioServer::State::respond(const httplib::Request& request, httplib::Response& response) {
    StudioRequest given{request.method, request.path.substr(token.size() + 2), request.body};
    for (const auto& [name, value] : request.params) given.parameters.emplace(name, value);
    if (given.path == "api/events") return streamEvents(response);
    StudioAnswer result = answer(given);
    response.status = result.status;
    for (const auto& [name, value] : result.headers) response.set_header(name, value);
    response.set_content(std::move(result.body), result.type);
}

void StudioServer::State::leave(const std::shared_ptr<Listener>& listener) {
    std::scoped_lock lock(mutex);
    listeners.erase(listener);
    left = Clock::now();
}

void StudioServer::State::streamEvents(httplib::Response& response) {
    auto listener = std::make_shared<Listener>();
    {
        std::scoped_lock lock(mutex);
        listeners.insert(listener);
        hadPage = true;
    }
    const auto next = [this, listener](std::size_t, httplib::DataSink& sink) {
        // A comment now and then: writing it tells whether somebody still listens.
        std::string text = ":\n\n";
        {
            std::unique_lock lock(mutex);
            sent.wait_for(lock, kBeat, [&] { return !listener->waiting.empty(); });
            if (!listener->waiting.empty()) {
                text = std::move(listener->waiting.front());
                listener->waiting.pop_front();
            }
        }
        return sink.write(text.data(), text.size());
    };
    response.set_chunked_content_provider("text/event-stream", next,
                                          [this, listener](bool) { leave(listener); });
}

StudioServer::StudioServer(int port, Answer answer) : state_(std::make_unique<State>()) {
    State& state = *state_;
    state.answer = std::move(answer);
    httplib::Server& server = state.server;
    server.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    // Without the port sharing that the library would ask for: a port in use is to be seen as such.
    server.set_socket_options([](socket_t socket) {
        const int yes = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    server.set_tcp_nodelay(true);
    server.set_keep_alive_max_count(100000);
    server.set_payload_max_length(kMostBytes);
    server.set_default_headers({{"Cache-Control", "no-store"},
                                {"Content-Security-Policy", kPolicy},
                                {"Cross-Origin-Opener-Policy", "same-origin"},
                                {"Cross-Origin-Resource-Policy", "same-origin"},
                                {"Referrer-Policy", "no-referrer"},
                                {"X-Content-Type-Options", "nosniff"}});
    server.set_pre_routing_handler([&state](const httplib::Request& request, httplib::Response& response) {
        if (state.admits(request)) return httplib::Server::HandlerResponse::Unhandled;
        if (state.takesOpening(request, response)) return httplib::Server::HandlerResponse::Handled;
        response.status = 403;
        response.set_header("Connection", "close");  // its body is not read
        response.set_content("Forbidden\n", "text/plain");
        return httplib::Server::HandlerResponse::Handled;
    });
    const auto respond = [&state](const httplib::Request& request, httplib::Response& response) {
        state.respond(request, response);
    };
    server.Get(".*", respond);
    server.Post(".*", respond);

    int bound = port;
    if (port > 0) {
        if (!server.bind_to_port(kHost, port)) fail(ExitCode::usage, "port {} of {} is in use", port, kHost);
    } else if (bound = kUsualPort; !server.bind_to_port(kHost, bound)) {
        bound = server.bind_to_any_port(kHost);
        if (bound <= 0) fail(ExitCode::internal, "no port of {} is free", kHost);
    }
    state.host = fmt::format("{}:{}", kHost, bound);
    state.thread = std::thread([&server] { server.listen_after_bind(); });
    while (!server.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

StudioServer::~StudioServer() {
    state_->server.stop();
    state_->thread.join();
}

std::string StudioServer::address() const {
    return fmt::format("http://{}/{}/", state_->host, state_->token);
}

std::string StudioServer::openingAddress() const {
    std::scoped_lock lock(state_->openingMutex);
    return fmt::format("http://{}/open/{}", state_->host, state_->opening);
}

void StudioServer::send(const std::string& event, const Json& data) {
    const std::string text = fmt::format("event: {}\ndata: {}\n\n", event,
                                         data.dump(-1, ' ', false, Json::error_handler_t::replace));
    std::scoped_lock lock(state_->mutex);
    for (const auto& listener : state_->listeners) listener->waiting.push_back(text);
    state_->sent.notify_all();
}

bool StudioServer::isLeft() const {
    std::scoped_lock lock(state_->mutex);
    return state_->hadPage && state_->listeners.empty() && Clock::now() - state_->left > kGrace;
}

}  // namespace qv::host
