#include "reporting/ole_container.h"

#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-outfile.h>
#include <gsf/gsf-output-stdio.h>
#include <gsf/gsf-utils.h>

#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <unistd.h>

namespace tradewick
{

namespace
{

struct Release {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename Object> using Owned = std::unique_ptr<Object, Release>;

} // namespace

bool writeContainer(const QString &path, const QVector<QByteArray> &parts, QString *error)
{
    QSaveFile file(path);
    const auto fail = [&](const QString &reason) {
        *error = QStringLiteral("不能写入文件 %1：%2").arg(path, reason);
        return false;
    };
    const QFileInfo present(path);
    if (present.exists() && !present.isFile()) // a device or pipe would be replaced by a file
        return fail(QStringLiteral("不是普通文件"));
    if (!file.open(QIODevice::WriteOnly))
        return fail(file.errorString());
    const int descriptor = dup(file.handle());
    FILE *stream = descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
    if (stream == nullptr)
        return fail(qt_error_string());
    gsf_init();
    const Owned<GsfOutput> sink(gsf_output_stdio_new_FILE("", stream, FALSE));
    const Owned<GsfOutfile> container(gsf_outfile_msole_new(sink.get()));
    const Owned<GsfOutput> workbook(gsf_outfile_new_child(container.get(), "Workbook", FALSE));
    bool written = std::all_of(parts.begin(), parts.end(), [&](const QByteArray &part) {
        return gsf_output_write(workbook.get(), size_t(part.size()), reinterpret_cast<const guint8 *>(part.data()));
    });
    written = gsf_output_close(workbook.get()) && written;
    written = gsf_output_close(GSF_OUTPUT(container.get())) && written; // closes the sink, too
    if (!written)
        return fail(qt_error_string());
    return file.commit() || fail(file.errorString());
}

} // namespace tradewick
