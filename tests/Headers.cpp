// Nothing of its own: the headers that most tests include are read once with it.
int main() {
  return 0;
}
