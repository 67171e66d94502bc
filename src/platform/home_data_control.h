#pragma once

// The home screen's data service. It needs the network.

#include <string>

class CHomeDataControlAPI {
 public:
    /// The one object, the service's own, or null when the service is absent.
    static CHomeDataControlAPI* GetInstance();

    /// Gives the object back; `GetInstance` makes it anew. Allowed when there is none.
    static void Destroy();

    /// Saves the home data into the entry `directory` of the package. Result: true on success.
    bool CopyCloneDataTVtoUSB(std::string directory, std::string option);

    /// Loads the home data from the entry `directory` of the package. Result: true on success.
    bool CopyCloneDataUSBtoTV(std::string directory, std::string option);
};
