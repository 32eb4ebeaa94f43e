// Default options of the sanitizers, compiled into every program that is built with them.
extern "C" {

// What the libraries never free is known by functions of theirs, which only slow unwinding finds. It takes
// most of the time of a program that allocates much.
const char* __asan_default_options() {
#ifdef TV_WINDOWS
    return "fast_unwind_on_malloc=0:detect_stack_use_after_return=1";
#else
    return "detect_stack_use_after_return=1";
#endif
}

const char* __ubsan_default_options() {
    return "print_stacktrace=1";
}

const char* __lsan_default_options() {
    return "print_suppressions=0";
}

// What the libraries never free: see doc/libraries.md.
const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\nleak:XtOwnSelection\nleak:XtDisownSelection\nleak:"
           "XtGetSelectionValue\nleak:XtOpenDisplay\n"
           "leak:XmRenderTableCopy\nleak:_XmGetPixmapBasedGC\nleak:_XmTextFieldReplaceText\n";
}
}
