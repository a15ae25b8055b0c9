// Only its version record matters.
int wmain() {
  return 0;
}
