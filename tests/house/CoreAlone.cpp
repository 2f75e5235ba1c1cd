// Nothing to do: that this links is the test.
int main() {}
