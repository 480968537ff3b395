// What the framework's own build would not take.
int shadow(int n) {
  int unused;
  for (int n = 0; n < 1; ++n) return n;
  return n;
}
