#include "common/ServerConnection.h"

#include <sys/socket.h>

#include <stdexcept>

namespace quiravent::test {

ServerIdentity::ServerIdentity(const std::string& file) {
    gnutls_certificate_credentials_t credentials = nullptr;
    gnutls_certificate_allocate_credentials(&credentials);
    m_credentials.reset(credentials);
    if (gnutls_certificate_set_x509_key_file(credentials, file.c_str(), file.c_str(),
                                             GNUTLS_X509_FMT_PEM) < 0)
        throw std::runtime_error("no certificate in " + file);
}

ServerConnection::ServerConnection(int socket, const ServerIdentity* identity) : m_socket(socket) {
    if (identity == nullptr) return;
    gnutls_session_t session = nullptr;
    gnutls_init(&session, GNUTLS_SERVER | GNUTLS_NO_SIGNAL);
    m_session.reset(session);
    gnutls_set_default_priority(session);
    gnutls_credentials_set(session, GNUTLS_CRD_CERTIFICATE, identity->credentials());
    gnutls_transport_set_int(session, socket);
}

bool ServerConnection::readByte(char& byte) {
    if (!m_session) return ::recv(m_socket, &byte, 1, 0) == 1;
    return gnutls_record_recv(m_session.get(), &byte, 1) == 1;
}

std::string ServerConnection::readRequest() {
    if (m_session && gnutls_handshake(m_session.get()) < 0) return {};
    std::string request;
    char byte = 0;
    while (request.find("\r\n\r\n") == std::string::npos && readByte(byte)) request += byte;
    return request;
}

ssize_t ServerConnection::sendSome(const char* bytes, size_t count) {
    if (!m_session) return ::send(m_socket, bytes, count, MSG_NOSIGNAL);
    return gnutls_record_send(m_session.get(), bytes, count);
}

void ServerConnection::waitUntilClientLeaves() {
    char ignored = 0;
    while (readByte(ignored)) {
    }
}

bool ServerConnection::send(const std::string& bytes) {
    size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = sendSome(bytes.data() + sent, bytes.size() - sent);
        if (count <= 0) return false;
        sent += static_cast<size_t>(count);
    }
    return true;
}

}  // namespace quiravent::test
