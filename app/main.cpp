#include "app/routine.h"
#include "platform/linewriter.h"

#include <cstdlib>
#include <unistd.h>

int main(int argc, char** argv) {
    platform::openStandardDescriptors();
    std::srand(static_cast<unsigned>(::getpid()));
    const std::string name = argc > 0 ? argv[0] : "tarvolin";
    return runApplication(name.substr(name.rfind('/') + 1), {argv + (argc > 0 ? 1 : 0), argv + argc});
}
