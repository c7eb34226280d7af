#include "program/Program.h"

int main(int argc, char** argv) {
    return program::run(argc, argv);
}
