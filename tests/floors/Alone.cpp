// A program that is only linked.
int main() {
  return 0;
}
