// For the leak checker: threads of Pango's hold on to what Fontconfig has given them when the
// process ends. Nothing is printed about it, since tests read what the bar prints.

// The names are the checker's.
// NOLINTBEGIN(*-reserved-identifier,*-identifier-naming)
extern "C" {
const char* __lsan_default_suppressions();
const char* __lsan_default_options();
}

const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}

const char* __lsan_default_options() {
    return "print_suppressions=0";
}
// NOLINTEND(*-reserved-identifier,*-identifier-naming)
