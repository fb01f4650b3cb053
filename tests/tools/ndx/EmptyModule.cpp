extern "C" __attribute__((visibility("default"))) int nothing_of_use() {
  return 0;
}
