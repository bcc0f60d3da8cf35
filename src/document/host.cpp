#include "document/host.h"

namespace ostrivex {

namespace {
DocumentHost* installedHost = nullptr;
}

DocumentHost* GetDocumentHost() { return installedHost; }
void SetDocumentHost(DocumentHost* host) { installedHost = host; }

} // namespace ostrivex
