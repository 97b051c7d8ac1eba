/// Asked by the thread sanitizer. libpulse passes its packets from thread to thread through lists
/// without locks, which the sanitizer can't see: it sees only how they are filled, here.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
  return "race:^pa_mutex_lock$\n"
         "race:^pa_iochannel_read_with_ancil_data$\n"
         "race:^pa_packet_new_data$\n"
         "race:^pa_srbchannel_read$\n";
}
