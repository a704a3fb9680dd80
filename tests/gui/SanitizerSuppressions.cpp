// What the thread sanitizer is to pass over: it does not see the locks of the toolkit's event queue.
extern "C" const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions() {
    return "race:QEvent::type\n";
}
