// The function of a library that one of ours stands before. Inside the folder only.
#pragma once

#include <dlfcn.h>

template <class Function> Function* zNext(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}
