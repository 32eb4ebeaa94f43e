#include "app/routine.h"
#include "platform/linewriter.h"

#include <cstdlib>
#include <unistd.h>

int main(int argc, char** argv) {
    platform::openStandardDescriptors();
    std::srand(static_cast<unsigned>(::getpid()));
    return runApplication(argc > 0 ? argv[0] : "tarvolin", {argv + (argc > 0 ? 1 : 0), argv + argc});
}
