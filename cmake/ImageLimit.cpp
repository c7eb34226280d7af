#include <QImageReader>

#include <cstdio>

// Prints how many mebibytes the pixels of one picture may take where the environment chooses no other limit.
int main() {
    qunsetenv("QT_IMAGEIO_MAXALLOC");
    std::printf("%d", QImageReader::allocationLimit());
}
