#include "app/entry_point.h"

#include "app/tessaran_app.h"

int acrxEntryPoint(int message, void* applicationId) {
    static tessaran::app::CTessaranApp application;
    return application.handle(message, applicationId);
}

unsigned acrxGetApiVersion() {
    return tessaran::app::kApiVersion;
}
