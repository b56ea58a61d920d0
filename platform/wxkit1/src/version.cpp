namespace wxkit1 {
// Keeps the library non-empty while its parts are added.
int library_revision() { return 1; }
} // namespace wxkit1
