// Preparing an icon against Qt's decoding of the same PNG alone: the two in turn, round after round, and the
// least time of each. Prints rows for bench/table.py and fails where an icon cannot be prepared.
#include "exchange/CircularDrawing.h"
#include "platform/images/ImageFile.h"
#include "platform/images/OvalPicture.h"

#include <QImageReader>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <random>

namespace {

constexpr double bar = 1.5;
constexpr int rounds = 200;

// A drawing-like picture with soft shading and some grain, as photos and logos have.
QImage picture(int side) {
    QImage image(side, side, QImage::Format_ARGB32);
    std::mt19937 random(1);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const int grain = static_cast<int>(random() % 5);
            const double distance = std::hypot(x - side / 2.0, y - side / 2.0) / side;
            const int alpha = distance < 0.48 ? 255 : distance > 0.5 ? 0 : 128;
            image.setPixel(x, y, qRgba(x * 250 / side + grain, y * 250 / side + grain, 120 + grain, alpha));
        }
    }
    return image;
}

double microseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

bool compare(const char* what, const std::string& path, const std::function<bool()>& prepare) {
    double preparing = std::numeric_limits<double>::max(), decoding = preparing;
    bool done = true;
    for (int round = 0; round < rounds; ++round) {
        preparing = std::min(preparing, microseconds([&] { done = prepare() && done; }));
        decoding =
            std::min(decoding, microseconds([&] {
                         done = !QImageReader(QString::fromStdString(path), "png").read().isNull() && done;
                     }));
    }
    std::printf("icon: %s\t%.0f us\t%.0f us decoding\t%.3f\t%.1f\n", what, preparing, decoding,
                preparing / decoding, bar);
    return done;
}

bool compareAt(int side, const std::string& path) {
    bool good = true;
    for (const double ratio : {1.0, 2.0}) {
        const auto round = [&] {
            const QSizeF size(40, 40);
            const platform::Image image = platform::imageWithContentsOfFile(path, [&](const QSize& file) {
                const QRectF drawing = exchange::circularDrawingRect(QSizeF(file), size);
                return platform::pixelsShownInOval(file, drawing, size, ratio);
            });
            const QRectF drawing = exchange::circularDrawingRect(image.size(), size);
            return !platform::ovalPicture(image, drawing, size, ratio).isNull();
        };
        const auto name = "round, " + std::to_string(side) + " px, ratio " + std::to_string(int(ratio));
        good = compare(name.c_str(), path, round) && good;
    }
    const auto name = "glyph, " + std::to_string(side) + " px";
    const auto glyph = [&] {
        const platform::Image image = platform::imageWithContentsOfFile(
            path, [](const QSize& file) { return platform::pixelsShownInView(file, QSizeF(40, 40), 1); });
        return !image.tinted(Qt::white).isNull();
    };
    return compare(name.c_str(), path, glyph) && good;
}

} // namespace

int main() {
    const QTemporaryDir folder;
    bool good = true;
    for (const int side : {128, 512}) {
        const QString path = folder.filePath(QStringLiteral("%1.png").arg(side));
        good = picture(side).save(path, "PNG") && compareAt(side, path.toStdString()) && good;
    }
    return good ? 0 : 1;
}
