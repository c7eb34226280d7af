#include "platform/images/ImageFile.h"

#include "platform/images/PngReader.h"

#include <QFile>
#include <QImageReader>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

// Opens regular files only: a fifo would block until it has a writer, and a device may have no end.
bool openRegularFile(QFile& file, const std::string& path) {
    if (path.find('\0') != std::string::npos)
        return false;
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0)
        return false;
    struct stat status {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    ::close(descriptor);
    return false;
}

// Suppresses Qt's warnings about broken image files for as long as it lives. Other messages are passed on.
class QuietReaders final {
public:
    QuietReaders() { previous() = qInstallMessageHandler(pass); }
    ~QuietReaders() { qInstallMessageHandler(previous()); }
    QuietReaders(const QuietReaders&) = delete;
    QuietReaders& operator=(const QuietReaders&) = delete;

private:
    static QtMessageHandler& previous() {
        static QtMessageHandler handler = nullptr;
        return handler;
    }
    static void pass(QtMsgType type, const QMessageLogContext& context, const QString& message) {
        if (!QByteArrayView(context.category).startsWith("qt.gui.imageio"))
            previous()(type, context, message);
    }
};

// Vector formats have no pixels of their own, and their files can refer to others.
bool isVectorFormat(const QByteArray& format) {
    return format == "svg" || format == "svgz" || format == "pdf";
}

QImage readWhole(QFile& file) {
    const QuietReaders quiet;
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    return isVectorFormat(reader.format()) ? QImage() : reader.read();
}

// Other formats than PNG are read whole, within Qt's limit, and then shrunk.
FilePixels readOther(QFile& file, const PixelChoice& choose) {
    QImage whole = readWhole(file);
    if (whole.isNull())
        return {};
    whole.setDevicePixelRatio(1);
    const KeptPixels kept = choose(whole.size());
    if (kept == allPixels(whole.size()))
        return {whole.size(), kept, whole};
    const QImage scaled = whole.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                              .scaled(kept.scaled, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return {whole.size(), kept, scaled.copy(kept.part)};
}

// Where the kept part lies in the picture, in points.
QRectF placeOf(const FilePixels& file) {
    const QRectF part(file.kept.part);
    const double x = static_cast<double>(file.picture.width()) / file.kept.scaled.width();
    const double y = static_cast<double>(file.picture.height()) / file.kept.scaled.height();
    return {part.x() * x, part.y() * y, part.width() * x, part.height() * y};
}

} // namespace

Image imageWithContentsOfFile(const std::string& path, const PixelChoice& choose) {
    QFile file;
    if (!openRegularFile(file, path))
        return {};
    FilePixels read = beginsLikePng(file) ? readPng(file, choose) : readOther(file, choose);
    if (read.pixels.isNull())
        return {};
    if (read.kept == allPixels(read.picture))
        return Image(std::move(read.pixels));
    return Image(std::move(read.pixels), QSizeF(read.picture), placeOf(read));
}

} // namespace platform
