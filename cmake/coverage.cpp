// Compiled into every program of the coverage build, which is linked with --wrap=_exit: a program that ends
// by _exit, as the tool does when the X server is lost, writes its counters first, as it does at a normal
// exit.
extern "C" {

void __gcov_dump();
[[noreturn]] void __real__exit(int status);
[[noreturn]] void __wrap__exit(int status);

void __wrap__exit(int status) {
    __gcov_dump();
    __real__exit(status);
}
}
