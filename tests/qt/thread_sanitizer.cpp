/// Asked by the thread sanitizer. Qt is built without it and locks in a way of its own, so an event
/// that it carried to another thread looks unordered. What is posted travels under our own lock.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libQt6Core.so.6\n"
         "race:^QEvent::type\n";
}
