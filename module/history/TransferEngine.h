// One history transfer: walks the devices and objects of the settings, reads each trend's log buffer in blocks from the
// position where the last transfer stopped, and writes the values of the tags that the log references belong to into
// the historical store. Lives on the transfer's thread for the length of one transfer.
//
// Within a long log the next block is read while the one in hand is stored. Lines, writes and positions come in the
// same order as without it; a write failure or an abort then leaves one answer unused.
//
// A failure of a device, a trend or a tag gives its error line and the walk goes on. Abort is seen between blocks, the
// kernel's exit message between objects. Positions are saved trend by trend, the last transfer time at the end; a
// journal keeps a killed process from repeating more than a block.
#pragma once

#include "module/console/Settings.h"
#include "module/history/HistoryModel.h"
#include "module/history/HistoryServices.h"
#include "module/history/PositionJournal.h"
#include "module/history/QilClient.h"
#include "module/history/QilVfi.h"
#include "module/history/ReadAhead.h"
#include "module/history/RowConverter.h"
#include "module/history/TransferState.h"

#include <cstdint>
#include <string>

class CTransferEngine {
public:
    // state.request narrows the transfer. settings are copied under the module lock when Run begins.
    CTransferEngine(const HistoryServices& services, CTransferState& state, const HistorySettings& settings);

    // False when the connection, a passive station or the channel ended the transfer early: no position and no last
    // transfer time has changed then.
    bool Run();

private:
    // What the limits of one device count. They hold for all its objects together.
    struct DeviceRun {
        const CDeviceSettings& settings;
        std::size_t readCount;     // entries to ask for in one block
        std::uint32_t startTick;   // ms
        std::uint32_t records = 0; // entries read
        bool limitReached = false;
    };

    void CopySettings();
    bool OpenKernel();
    void TransferDevice(const CDeviceSettings& settings);
    void TransferObject(DeviceRun& run, const std::string& name);
    void ReadBlocks(DeviceRun& run, const CBACnetTrend& trend, const std::vector<HistoryTagRecord>& tags,
                    BACSTAC_DATE_TIME& position);
    static bool IsNextBlockSure(const DeviceRun& run, const CBACnetTrend& trend, std::size_t rows);
    void CountBlock(DeviceRun& run, std::size_t rows);
    bool IsStopped() const { return m_state.abort || !m_client.IsAlive(); }

    const HistoryServices m_services;
    CTransferState& m_state;
    const HistorySettings& m_source;
    HistorySettings m_settings;
    CPositionJournal m_journal;
    CHistoryModel m_model;
    CReadAhead m_readAhead; // behind the model: what it reads belongs there
    CQilClient m_client;
    CQilVFI m_vfi; // behind the client: it is closed before the connection goes
};
