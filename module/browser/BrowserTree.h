// The browser's tree over a directory: networks, devices, object types, objects. Headless; on the console thread.
//
// Types and objects become items only when they are asked for, so a rebuild costs what can be seen: the networks and
// their devices. Items live until the next rebuild; whoever waits for a device or an operator meanwhile holds
// identities and looks the item up again.
#pragma once

#include "api/bacnet/Dir.h"
#include "module/browser/LabelOrder.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

enum class TreeKind : std::int32_t { Root = 0, Network = 1, Device = 2, Type = 3, Object = 4 };

// Numbers in the strips of images.
inline constexpr int IMAGE_NETWORK = 0;
inline constexpr int IMAGE_DEVICE = 0; // 0 to 2: the device's status
inline constexpr int IMAGE_PROPERTY = 3;
inline constexpr int IMAGE_TYPE = 4;
inline constexpr int IMAGE_OBJECT = 5; // its status was not read
inline constexpr int IMAGE_IN_SERVICE = 6;
inline constexpr int IMAGE_OUT_OF_SERVICE = 7;
inline constexpr int STATE_NONE = 0;
inline constexpr int STATE_NOT_READ = 1;
inline constexpr int STATE_NORMAL = 2;
inline constexpr int STATE_ALARM = 3;

struct TreeItem {
    TreeKind kind = TreeKind::Root;
    std::uint32_t value = 0; // network number, device instance, object type or object instance
    int image = 0;
    int state = STATE_NONE;
    bool startsOpen = false;
    bool isFilled = false; // its children were asked for
    int row = 0;           // among the parent's children
    TreeItem* parent = nullptr;
    std::string label;
    std::vector<std::unique_ptr<TreeItem>> children;
};

// The tree has no root item: nothing selected is of kind Root.
struct TreeIdentity {
    static constexpr std::uint16_t NO_NETWORK = 65535;
    static constexpr std::uint32_t NONE = 0xFFFFFFFF;

    std::uint16_t network = NO_NETWORK;
    unsigned device = NONE;
    BACSTAC_OBJECT_ID object{NONE, NONE};
};

// Who shows the tree.
class ITreeObserver {
public:
    virtual ~ITreeObserver() = default;
    virtual void OnTreeChanging() = 0; // all items go
    virtual void OnTreeChanged() = 0;
    virtual void OnItemChanged(const TreeItem& item) = 0; // its images
    virtual void OnItemAdding(const TreeItem& parent, int row) = 0;
    virtual void OnItemAdded(const TreeItem& item) = 0;
};

class CBrowserTree {
public:
    explicit CBrowserTree(const ILabelOrder& order) : m_order(order) {}

    void SetObserver(ITreeObserver* observer) { m_observer = observer; } // null for none; borrowed
    // Shows the directory; local is the number that stands on the label of network 0.
    void Build(const CBACnetDir& directory, std::uint16_t local);
    void Clear();

    TreeItem& GetRoot() { return m_root; }
    // Makes the children of the item first, if nobody has asked for them yet.
    const std::vector<std::unique_ptr<TreeItem>>& GetChildren(TreeItem& item);
    static bool HasChildren(const TreeItem& item) { return item.kind != TreeKind::Object; } // as the tree shows it

    TreeItem* FindDevice(unsigned device) const; // null when it is not there
    TreeItem* FindType(unsigned device, BACSTAC_OBJECT_TYPE type);
    TreeItem* FindObject(unsigned device, const BACSTAC_OBJECT_ID& object);
    const std::map<unsigned, TreeItem*>& GetDevices() const { return m_devices; }
    void SetImages(TreeItem& item, int image, int state);

    // The one with that value, or a new one behind the others. A new type knows no vendor's names.
    TreeItem& FindOrAddNetworkItem(std::uint16_t network);
    TreeItem& FindOrAddTypeItem(TreeItem& device, BACSTAC_OBJECT_TYPE type);

    // Level and number, then the label.
    static std::string GetTooltip(const TreeItem& item);

private:
    TreeItem& Append(TreeItem& parent, TreeKind kind, std::uint32_t value, std::string label);
    TreeItem& AppendShown(TreeItem& parent, TreeKind kind, std::uint32_t value, std::string label);
    TreeItem& AppendNetwork(std::uint16_t network, bool isShown);
    void FillNetwork(TreeItem& network, bool isChain);
    void FillDevice(TreeItem& device);
    void FillType(TreeItem& type);
    void Sort(TreeItem& parent);
    TreeItem* FindChild(TreeItem* parent, std::uint32_t value);

    const ILabelOrder& m_order;
    ITreeObserver* m_observer = nullptr;
    CBACnetDir m_directory; // what is shown
    std::uint16_t m_local = 0;
    TreeItem m_root;
    std::map<unsigned, TreeItem*> m_devices;
};

// Whose item this is, from its ancestors. A device stands for its device object; a type has no instance. With object
// false only networks and devices are meant. False, and what was found, when the item lies above the devices or does
// not fit.
bool ResolveItem(const TreeItem* item, bool withObject, TreeIdentity& identity);
