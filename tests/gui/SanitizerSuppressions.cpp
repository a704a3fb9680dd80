// What the sanitizers are to pass over: the toolkit's own libraries keep what they allocate until the process ends, and
// the thread sanitizer does not see the locks of the toolkit's event queue.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}

extern "C" const char* __tsan_default_suppressions() {
    return "race:QEvent::type\n";
}
