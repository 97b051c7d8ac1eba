/// Asked by the leak sanitizer. One decoder is loaded a process and never freed; the library holds it.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libsphinxbase\nleak:libpocketsphinx\n";
}
