/// Asked by the thread sanitizer. Qt is built without it and locks in a way of its own, so what its
/// libraries allocate and signal themselves looks unordered, and so do an event that Qt carried to
/// another thread and the table of compiled QML that its loader reads. Our own code stays watched.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libQt6Core.so.6\n"
         "called_from_lib:libQt6Gui.so.6\n"
         "called_from_lib:libQt6Qml.so.6\n"
         "race:^QEvent::type\n"
         "race:zelvora_ui_qmlcache_loader.cpp\n";
}
