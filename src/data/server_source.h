// What the sources of all database servers have in common: where the server is and how the link to it is guarded.
#pragma once

#include "data/data_error.h"

class QUrlQuery;

namespace tradewick
{

struct Guard {
    enum class Tls {
        Verify,  // encrypted, and the server's certificate is valid for the name it was called by
        Encrypt, // encrypted, whoever answers
        Off,     // as the server likes
    };
    // The file of the certificates that the system trusts, for servers whose certificate was bought.
    static QString systemCertificates() { return QStringLiteral("/etc/ssl/certs/ca-certificates.crt"); }

    Tls tls = Tls::Verify;
    QString ca; // file of the certificates that are trusted
};

// The error that a source cannot be read as one; a password in it is not repeated.
DataError unreadableSource(QString source);

// Whether a server of that name or address is on this machine.
bool isThisMachine(const QString &host);

// Reads tls=verify|encrypt|off and ca=FILE. A server on this machine needs no TLS unless the source asks for it, any
// other is verified unless the source says otherwise. `source` is what a failure names; throws DataError for a word
// that is none of these and, where it is needed, for a file that is not there.
Guard guardOf(const QUrlQuery &query, bool onThisMachine, const QString &source);

} // namespace tradewick
