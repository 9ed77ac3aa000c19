#include "data/server_source.h"

#include "data/data_error.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QUrlQuery>

namespace tradewick
{

DataError unreadableSource(QString source)
{
    static const QRegularExpression password(QStringLiteral("//[^@/]*@"));
    return {0, QStringLiteral("无法识别的服务器名称“%1”").arg(source.replace(password, QStringLiteral("//")))};
}

bool isThisMachine(const QString &host)
{
    static const QRegularExpression loopback(QStringLiteral(R"(^(localhost|127\.\d+\.\d+\.\d+|::1)$)"),
                                             QRegularExpression::CaseInsensitiveOption);
    return loopback.match(host).hasMatch();
}

Guard guardOf(const QUrlQuery &query, bool onThisMachine, const QString &source)
{
    Guard guard;
    const QString tls = query.queryItemValue("tls");
    if (tls == QLatin1String("off") || (tls.isEmpty() && onThisMachine))
        guard.tls = Guard::Tls::Off;
    else if (tls == QLatin1String("encrypt"))
        guard.tls = Guard::Tls::Encrypt;
    else if (!tls.isEmpty() && tls != QLatin1String("verify"))
        throw unreadableSource(source);
    guard.ca = query.queryItemValue("ca", QUrl::FullyDecoded);
    if (guard.ca.isEmpty())
        guard.ca = Guard::systemCertificates();
    if (guard.tls == Guard::Tls::Verify && (!QFileInfo(guard.ca).isFile() || guard.ca.contains(u';')))
        throw DataError(0, QStringLiteral("找不到证书文件“%1”").arg(guard.ca));
    return guard;
}

} // namespace tradewick
