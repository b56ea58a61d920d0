/* grüß */
int main() { return 0; }
