// A component that says which phase it is in: step 1 of docs/guide.md.
#include <cstdio>

#include "guide.h"

class Greeter : public nfw::Component {
 public:
  Greeter() : nfw::Component("Greeter") {}

 private:
  int initializeBeforeQuickBootImp() override { return say("only what must be ready at once"); }
  int initializeAfterQuickBootImp() override { return say("the rest that has to be ready"); }
  int startImp() override { return say("work begins"); }
  int stopImp() override { return say("work ends"); }
  int shutdownImp() override { return say("what was initialised is given back"); }

  int say(const char* npText) {
    std::printf("%s: %s\n", getComponentName(), npText);
    return nfw::PHASE_DONE;
  }
};

int main() {
  Application lApplication;
  lApplication.add(new Greeter);
  lApplication.goUp();
  std::printf("the application runs\n");
  lApplication.goDown();
}
