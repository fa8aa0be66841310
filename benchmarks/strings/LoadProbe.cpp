// Does nothing: the time that it takes is that of loading what it is linked to.
int main() { return 0; }
