// What the sanitizers are told, in every program that is built with them, however it is started.
extern "C" {

const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0:detect_stack_use_after_return=1";
}

const char* __ubsan_default_options() {
    return "print_stacktrace=1";
}

const char* __lsan_default_options() {
    return "print_suppressions=0";
}

// The font library keeps its caches, and the Intrinsics what they know of each selection, until the end of
// the process; an attempt to open a display leaves the display's name; the combo boxes together keep two
// shared graphics contexts, however many there are; a text field never frees the text of a key that its
// verification refuses.
const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\nleak:XtOwnSelection\nleak:XtDisownSelection\nleak:XtOpenDisplay\n"
           "leak:_XmGetPixmapBasedGC\nleak:_XmTextFieldReplaceText\n";
}
}
