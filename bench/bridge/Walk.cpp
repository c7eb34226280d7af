// korvel_bench_bridge_walk FILE: unpacks a gzip file and walks its XML to the end, and does nothing with it
// but count: the least that a program has to do which learns something from such a file. Prints the size of
// the text and the number of elements.

#include <QFile>
#include <QXmlStreamReader>

#include <zlib.h>

#include <cstdio>

namespace {

QByteArray unpacked(const QByteArray& packed) {
    QByteArray text;
    z_stream stream = {};
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    constexpr int gzipOnly = 16 + MAX_WBITS;
    int result = inflateInit2(&stream, gzipOnly);
    char buffer[1 << 16];
    while (result == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef*>(buffer);
        stream.avail_out = sizeof buffer;
        result = inflate(&stream, Z_NO_FLUSH);
        text.append(buffer, static_cast<qsizetype>(sizeof buffer - stream.avail_out));
    }
    inflateEnd(&stream);
    return result == Z_STREAM_END ? text : QByteArray();
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2)
        return 2;
    QFile file(QFile::decodeName(arguments[1]));
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    const QByteArray text = unpacked(file.readAll());
    QXmlStreamReader reader(text);
    long long elements = 0;
    while (!reader.atEnd())
        elements += reader.readNext() == QXmlStreamReader::StartElement;
    std::printf("%lld %lld\n", static_cast<long long>(text.size()), elements);
    return reader.hasError() ? 1 : 0;
}
