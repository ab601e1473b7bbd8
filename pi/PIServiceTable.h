#pragma once

#include <cstdint>

#include "pi/PIServerFunctions.h"

/// What a service call returns: a handle (a pointer cast to this type), a truth value or a status, as
/// the contract says of each service. 0 means nothing returned.
using PIServiceResult = std::intptr_t;

/// The host's service table. The host makes it and owns it; it must outlive HPI_CleanUpPlugin. The
/// plug-in calls it through the second entry of its virtual table, hence two plain virtual functions and
/// no virtual destructor in front of them.
class PIServiceTable {
  public:
    /// The host's build number, in the numbering of HPI_MinimumVersion: version 1.30 is 13000. Never called
    /// by the plug-in.
    virtual std::int32_t hostBuildNumber() = 0;

    /// Performs one service.
    /// \param identity the plug-in instance on whose behalf the call is made: the handle given to
    ///        HPI_InitializeFunctionMap, or the one pushed last with service 16
    /// \param service the number of the service
    /// \param args the service's record, owned by the caller and valid during the call
    /// \return what the contract says of the service; 0 of a number that this host does not serve
    /// It must not throw.
    virtual PIServiceResult handle(void* identity, PIServerFunctions_t service, void* args) = 0;

  protected:
    ~PIServiceTable() = default;
};
