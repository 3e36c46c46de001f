/// Asked by the thread sanitizer at the start of a program. GLib is not built with it and orders its threads by means
/// that the sanitizer does not see, so what GLib does with memory on a thread of its own looks like a race. Our own
/// accesses are still watched.
extern "C" const char *__tsan_default_suppressions(); // NOLINT(bugprone-reserved-identifier): the sanitizer's name

extern "C" const char *__tsan_default_suppressions() // NOLINT(bugprone-reserved-identifier): the sanitizer's name
{
    return "called_from_lib:libglib-2.0.so.0\n"
           "called_from_lib:libgobject-2.0.so.0\n"
           "called_from_lib:libgio-2.0.so.0\n";
}
