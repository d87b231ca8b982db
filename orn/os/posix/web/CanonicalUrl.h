/// The canonical form of URLs, as the Windows shell forms it.
#pragma once

#include <string>

namespace ORN::os::web {

/// Without blanks around it and dot segments in its path, with unsafe characters escaped. A query and a fragment stay.
std::wstring canonicalUrl(std::wstring url);

}
