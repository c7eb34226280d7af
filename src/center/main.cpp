#include "center/Program.h"

int main(int argc, char** argv) {
    return center::run(argc, argv);
}
