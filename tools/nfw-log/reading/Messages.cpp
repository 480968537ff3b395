#include "Messages.h"

#include <unistd.h>

#include "Output.h"
#include "PrintableText.h"

namespace logtool {

void writeToErrors(std::string_view nText) {
  tool::Output lErrors(STDERR_FILENO);
  lErrors.write(nText);
  lErrors.flush();
}

void say(std::string_view nText) {
  std::string lLine = "nfw-log: ";
  tool::appendPrintable(nText, &lLine);
  writeToErrors(lLine + "\n");
}

}  // namespace logtool
