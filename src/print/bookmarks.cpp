#include "print/bookmarks.h"

#define POINTERHOLDER_TRANSITION 4 // standard smart pointers only
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

namespace tradewick
{

QByteArray withBookmarks(const QByteArray &pdf, const QVector<Bookmark> &bookmarks)
{
    using Handle = QPDFObjectHandle;
    QPDF file;
    file.processMemoryFile("pdf", pdf.constData(), size_t(pdf.size()));
    const std::vector<Handle> &pages = file.getAllPages();
    Handle outlines = file.makeIndirectObject(Handle::newDictionary());
    outlines.replaceKey("/Count", Handle::newInteger(bookmarks.size()));
    Handle before;
    for (const Bookmark &bookmark : bookmarks) {
        Handle entry = file.makeIndirectObject(Handle::newDictionary());
        entry.replaceKey("/Title", Handle::newUnicodeString(bookmark.title.toStdString()));
        entry.replaceKey("/Parent", outlines);
        entry.replaceKey("/Dest", Handle::newArray({pages.at(size_t(bookmark.page)), Handle::newName("/Fit")}));
        if (before.isInitialized()) {
            before.replaceKey("/Next", entry);
            entry.replaceKey("/Prev", before);
        } else {
            outlines.replaceKey("/First", entry);
        }
        outlines.replaceKey("/Last", entry);
        before = entry;
    }
    file.getRoot().replaceKey("/Outlines", outlines);
    if (bookmarks.size() > 1)
        file.getRoot().replaceKey("/PageMode", Handle::newName("/UseOutlines"));
    QPDFWriter writer(file);
    writer.setOutputMemory();
    writer.write();
    const std::shared_ptr<Buffer> written = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char *>(written->getBuffer()), qsizetype(written->getSize())};
}

} // namespace tradewick
