// DrawGlyphs TARGET.cpp WORDS.tsv GLYPH.svg...: writes the glyphs as PNG files and the table of their words
// into a source file that defines what bridge/icons/GlyphFiles.h declares.
#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextStream>

#include <cstdio>

namespace {

// A row shows a glyph at 38 points: on a screen of two pixels to a point every pixel of the file is one of
// the screen's, on one of a single pixel four of them are.
constexpr int pixelsToAPoint = 2;

int fail(const QString& what, const char* why) {
    std::fprintf(stderr, "%s: %s\n", qPrintable(what), why);
    return 1;
}

// Empty where the file is no drawing.
QByteArray pngOfDrawing(const QString& path) {
    QSvgRenderer drawing(path);
    if (!drawing.isValid())
        return {};
    QImage picture(drawing.defaultSize() * pixelsToAPoint, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, QRectF(picture.rect()));
    painter.end();
    QByteArray png;
    QBuffer buffer(&png);
    return buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, "PNG") ? png : QByteArray();
}

void writeBytes(QTextStream& source, const QString& name, const QByteArray& bytes) {
    source << "constexpr unsigned char " << name << "[] = {";
    for (qsizetype at = 0; at < bytes.size(); ++at)
        source << (at % 24 == 0 ? "\n" : "") << static_cast<unsigned char>(bytes[at]) << ',';
    source << "};\n";
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 4)
        return 2;
    const QString words = QString::fromLocal8Bit(argv[2]);
    QFile table(words);
    if (!table.open(QIODevice::ReadOnly))
        return fail(words, "cannot be read");
    const QString path = QString::fromLocal8Bit(argv[1]);
    QFile target(path);
    if (!target.open(QIODevice::WriteOnly))
        return fail(path, "cannot be written");
    QTextStream source(&target);
    source << "#include \"bridge/icons/GlyphFiles.h\"\n\nnamespace bridge {\n\nnamespace {\n\n";
    writeBytes(source, QStringLiteral("table"), table.readAll());
    QString entries;
    for (int glyph = 3; glyph < argc; ++glyph) {
        const QFileInfo file(QString::fromLocal8Bit(argv[glyph]));
        const QByteArray png = pngOfDrawing(file.filePath());
        if (png.isEmpty())
            return fail(file.filePath(), "no drawing");
        const QString array = QStringLiteral("glyph%1").arg(glyph);
        writeBytes(source, array, png);
        entries += QStringLiteral("    {\"%1\", view(%2)},\n").arg(file.completeBaseName(), array);
    }
    source << "\ntemplate <std::size_t size>\nstd::string_view view(const unsigned char (&bytes)[size]) {\n"
              "    return {reinterpret_cast<const char*>(bytes), size};\n}\n\n"
              "const GlyphFile files[] = {\n"
           << entries
           << "};\n\n} // namespace\n\nstd::span<const GlyphFile> glyphFiles() {\n    return files;\n}\n\n"
              "std::string_view glyphWords() {\n    return view(table);\n}\n\n} // namespace bridge\n";
    source.flush();
    return target.flush() ? 0 : fail(path, "cannot be written");
}
