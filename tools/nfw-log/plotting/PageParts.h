#pragma once

#include <string_view>

namespace logtool {

/// What the page is made of, as the build put it into the program.
struct PageParts {
  std::string_view mStyle;     ///< CSS of the libraries and of the page
  std::string_view mScript;    ///< the libraries, then the page's own
  std::string_view mLicences;  ///< of the libraries
};
PageParts pageParts();

}  // namespace logtool
