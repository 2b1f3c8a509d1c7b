// Ends at once, without a window.
int wmain() {
    return 0;
}
