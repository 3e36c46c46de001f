/// Asked by the thread sanitizer at the start of a program. Qt, D-Bus and GLib are not built with it, so it sees
/// neither their atomics nor their queues: an object that one thread hands to another through them, or whose last
/// reference one thread lets go of after the other, looks like a race in whoever touches it. What no library of these
/// takes part in is watched as ever: the audio path is ours from end to end. So it is with what PipeWire frees on the
/// control thread after its data thread has let go of it.
extern "C" const char *__tsan_default_suppressions(); // NOLINT(bugprone-reserved-identifier): the sanitizer's name

extern "C" const char *__tsan_default_suppressions() // NOLINT(bugprone-reserved-identifier): the sanitizer's name
{
    return "called_from_lib:libglib-2.0.so.0\n"
           "called_from_lib:libgobject-2.0.so.0\n"
           "called_from_lib:libgio-2.0.so.0\n"
           "race:libQt6Core.so.6\n"
           "race:libQt6DBus.so.6\n"
           "race:libdbus-1.so.3\n" // takes its mutexes where the sanitizer sees them, and makes them where it does not
           "race:libpipewire-module-client-node.so\n" // a port's buffers, when its last link goes
           "race:pw_get_user_name\n" // two connections of one process, as tests have them, ask who the user is
           // The same references, counted in headers: the promise's side lives in our object files.
           "race:QtPrivate::ResultStoreBase\n"
           "race:QtPrivate::ResultIteratorBase\n"
           "race:QFutureInterface\n"
           "race:QPromise\n";
}
