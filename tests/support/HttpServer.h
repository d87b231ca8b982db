/// A web server of a test's own, on the loopback, that answers every request on a thread of its own.
#pragma once

#include <functional>
#include <memory>
#include <string>

class HttpServer {
public:
    class Client {
    public:
        virtual ~Client() = default;
        virtual void send(std::string const& bytes) = 0;
        virtual void waitForEnd() = 0;  ///< until the client has closed the connection

        void head(std::string const& status, std::string const& fields) {
            send("HTTP/1.1 " + status + "\r\nConnection: close\r\n" + fields + "\r\n");
        }
        void content(std::string const& bytes) {
            head("200 OK", "Content-Length: " + std::to_string(bytes.size()) + "\r\n");
            send(bytes);
        }
    };

    /// Answers a request for a path; the connection is closed when it returns.
    using Answer = std::function<void(Client&, std::string const& path)>;

    explicit HttpServer(Answer answer);
    ~HttpServer();  ///< waits for the answers that are under way
    HttpServer(HttpServer const&) = delete;
    HttpServer& operator=(HttpServer const&) = delete;

    std::wstring operator/(std::wstring const& path) const;  ///< the URL

private:
    struct Imp;
    std::unique_ptr<Imp> imp_;
};
