#include "platform/images/ImageFile.h"

#include "platform/images/PngReader.h"

#include <QFile>
#include <QImageReader>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

QImage read(QFile& file) {
    if (beginsLikePng(file))
        return readPng(file);
    const QuietReaders quiet;
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    return isVectorFormat(reader.format()) ? QImage() : reader.read();
}

} // namespace

Image imageWithContentsOfFile(const std::string& path) {
    QFile file;
    if (!openRegularFile(file, path))
        return {};
    QImage image = read(file);
    image.setDevicePixelRatio(1);
    return Image(std::move(image));
}

} // namespace platform
