// These tests allocate so often that noting where takes a fifth of their time. A report names fewer callers of an
// allocation here; ASAN_OPTIONS=malloc_context_size=30 brings them back.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "malloc_context_size=4:quarantine_size_mb=16";
}
