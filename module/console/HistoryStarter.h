// What the console dialog needs of the history transfer.
#pragma once

struct BACSTAC_DEV_OBJ_REF;

struct IHistoryStarter {
    virtual ~IHistoryStarter() = default;
    // Starts a transfer of what is requested, null for all trend logs. Takes ownership of the request in every case.
    // False when a transfer runs already. Called on the console thread; returns at once.
    virtual bool StartTransfer(bool manual, BACSTAC_DEV_OBJ_REF* request) = 0;
};
