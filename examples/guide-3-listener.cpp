// Listens to the positions of a receiver: step 3 of docs/guide.md. At a desk the receiver is standard input.
#include "guide-feed.h"
#include "guide-positions.h"

int main() {
  Application lApplication;
  lApplication.add(new Services);
  lApplication.add(new Positions);
  lApplication.goUp();
  feedStandardInput();
  lApplication.goDown();
}
