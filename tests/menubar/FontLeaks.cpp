// For the leak checker: threads of Pango's hold on to what Fontconfig has given them when the
// process ends. Nothing is printed about it, since tests read what the bar prints.
extern "C" {
const char* __lsan_default_suppressions(); // NOLINT(*-reserved-identifier)
const char* __lsan_default_options();      // NOLINT(*-reserved-identifier)
}

const char* __lsan_default_suppressions() { // NOLINT(*-reserved-identifier)
    return "leak:libfontconfig\n";
}

const char* __lsan_default_options() { // NOLINT(*-reserved-identifier)
    return "print_suppressions=0";
}
