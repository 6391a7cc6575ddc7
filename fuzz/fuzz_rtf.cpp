// Feeds arbitrary bytes to the RTF reader, then writes what it built and
// reads that again: neither may crash, hang or leak, and the writer's
// output must always be RTF the reader accepts.
#include "richtext/RtfReader.h"
#include "richtext/RtfWriter.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QTextDocument>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Broken pictures are expected here; their warnings are noise.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false"));
    static QGuiApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QTextDocument document;
    RtfReader reader;
    if (!reader.read(QByteArrayView(data, qsizetype(size)), &document))
        return 0;
    const QByteArray rtf = RtfWriter().toRtf(&document);
    QTextDocument copy;
    if (!reader.read(rtf, &copy))
        std::abort();
    return 0;
}
