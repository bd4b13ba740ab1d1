#pragma once

#include <gnutls/gnutls.h>

#include <memory>
#include <string>

namespace quiravent::test {

/// By what a server proves who it is.
class ServerIdentity {
  public:
    /// file: PEM, with the certificate and its private key.
    explicit ServerIdentity(const std::string& file);

    gnutls_certificate_credentials_t credentials() const { return m_credentials.get(); }

  private:
    struct Free {
        void operator()(gnutls_certificate_credentials_t credentials) const {
            gnutls_certificate_free_credentials(credentials);
        }
    };
    std::unique_ptr<std::remove_pointer_t<gnutls_certificate_credentials_t>, Free> m_credentials;
};

/// The server's end of a connection. For one thread.
class ServerConnection {
  public:
    /// identity: null for a connection without TLS. Neither that nor the socket is owned.
    ServerConnection(int socket, const ServerIdentity* identity);

    /// Everything up to an empty line; empty when the client is gone or refuses the server.
    std::string readRequest();
    /// False when the client has gone.
    bool send(const std::string& bytes);
    void waitUntilClientLeaves();

  private:
    struct Free {
        void operator()(gnutls_session_t session) const { gnutls_deinit(session); }
    };
    bool readByte(char& byte);
    ssize_t sendSome(const char* bytes, size_t count);

    const int m_socket;
    std::unique_ptr<std::remove_pointer_t<gnutls_session_t>, Free> m_session;
};

}  // namespace quiravent::test
