#include "tests/support/HttpServer.h"

#include <Sockets.h>

#include <atomic>
#include <list>
#include <stdexcept>
#include <thread>

namespace {

class Socket final : public HttpServer::Client {
public:
    explicit Socket(sockets::Native native) : native_{native} {
        if (native_ == static_cast<sockets::Native>(-1)) throw std::runtime_error{"no socket"};
    }
    ~Socket() override { sockets::close(native_); }
    Socket(Socket const&) = delete;
    Socket& operator=(Socket const&) = delete;

    sockets::Native native() const { return native_; }

    void send(std::string const& bytes) override {
        for (std::size_t sent = 0; sent < bytes.size();) {
            auto const count =
                ::send(native_, bytes.data() + sent, static_cast<int>(bytes.size() - sent), sockets::sendFlags);
            if (count <= 0) return;
            sent += static_cast<std::size_t>(count);
        }
    }
    void waitForEnd() override {
        while (!receive().empty()) {}
    }
    std::string receive() {
        char buffer[4096];
        auto const count = ::recv(native_, buffer, sizeof buffer, 0);
        return count > 0 ? std::string(buffer, static_cast<std::size_t>(count)) : std::string{};
    }

private:
    sockets::Native native_;
};

}

struct HttpServer::Imp {
    Answer answer;
    sockaddr_in address{};
    Socket listener;
    std::atomic<bool> ended{false};
    std::thread thread;

    explicit Imp(Answer given)
        : answer{std::move(given)}, listener{(sockets::start(), ::socket(AF_INET, SOCK_STREAM, 0))} {
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        using namespace sockets;
        socklen_t size = sizeof address;
        auto* const general = reinterpret_cast<sockaddr*>(&address);
        if (::bind(listener.native(), general, size) != 0 || ::listen(listener.native(), 64) != 0 ||
            ::getsockname(listener.native(), general, &size) != 0)
            throw std::runtime_error{"no server"};
        thread = std::thread{[this] { serve(); }};
    }

    ~Imp() {
        ended = true;
        {
            Socket const waker{::socket(AF_INET, SOCK_STREAM, 0)};
            ::connect(waker.native(), reinterpret_cast<sockaddr*>(&address), sizeof address);
        }
        thread.join();
    }

    void serve() {
        std::list<std::thread> clients;
        while (true) {
            auto const native = ::accept(listener.native(), nullptr, nullptr);
            if (ended) {
                sockets::close(native);
                break;
            }
            clients.emplace_back([this, native] {
                Socket client{native};
                std::string request;
                while (request.find("\r\n\r\n") == std::string::npos) {
                    std::string const more = client.receive();
                    if (more.empty()) return;
                    request += more;
                }
                std::size_t const path = request.find(' ') + 1;
                answer(client, request.substr(path, request.find(' ', path) - path));
            });
        }
        for (std::thread& client : clients) client.join();
    }
};

HttpServer::HttpServer(Answer answer) : imp_{std::make_unique<Imp>(std::move(answer))} {}
HttpServer::~HttpServer() = default;

std::wstring HttpServer::operator/(std::wstring const& path) const {
    return L"http://127.0.0.1:" + std::to_wstring(ntohs(imp_->address.sin_port)) + L'/' + path;
}
