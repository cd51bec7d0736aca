// A test of something else.
int main() { }
