#include "module/browser/BrowserTree.h"

#include "api/bacnet/Enums.h"

#include <algorithm>
#include <set>
#include <utility>

namespace {

// Line breaks and their like would tear a row apart.
std::string OneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    return text;
}

std::string Labelled(const std::string& name, unsigned instance) {
    return OneLine(name) + " - " + std::to_string(instance);
}

int FirstImage(TreeKind kind) {
    switch (kind) {
    case TreeKind::Type:
        return IMAGE_TYPE;
    case TreeKind::Object:
        return IMAGE_OBJECT;
    default:
        return IMAGE_NETWORK;
    }
}

} // namespace

TreeItem& CBrowserTree::Append(TreeItem& parent, TreeKind kind, std::uint32_t value, std::string label) {
    auto item = std::make_unique<TreeItem>();
    item->kind = kind;
    item->value = value;
    item->image = FirstImage(kind);
    item->state = kind == TreeKind::Object ? STATE_NOT_READ : STATE_NONE;
    item->row = static_cast<int>(parent.children.size());
    item->parent = &parent;
    item->label = std::move(label);
    parent.children.push_back(std::move(item));
    return *parent.children.back();
}

TreeItem& CBrowserTree::AppendShown(TreeItem& parent, TreeKind kind, std::uint32_t value, std::string label) {
    if (m_observer)
        m_observer->OnItemAdding(parent, static_cast<int>(parent.children.size()));
    TreeItem& item = Append(parent, kind, value, std::move(label));
    item.isFilled = true;
    item.startsOpen = true;
    if (m_observer)
        m_observer->OnItemAdded(item);
    return item;
}

TreeItem& CBrowserTree::AppendNetwork(std::uint16_t network, bool isShown) {
    std::string label = "Network " + std::to_string(network == 0 ? m_local : network);
    return isShown ? AppendShown(m_root, TreeKind::Network, network, std::move(label))
                   : Append(m_root, TreeKind::Network, network, std::move(label));
}

void CBrowserTree::Clear() {
    if (m_observer)
        m_observer->OnTreeChanging();
    m_devices.clear();
    m_root.children.clear();
    m_directory = {};
    if (m_observer)
        m_observer->OnTreeChanged();
}

void CBrowserTree::Build(const CBACnetDir& directory, std::uint16_t local) {
    if (m_observer)
        m_observer->OnTreeChanging();
    m_devices.clear();
    m_root.children.clear();
    m_directory = directory;
    m_local = local;
    const std::map<unsigned short, bool> networks = m_directory.GetNetLst();
    for (const auto& [network, isRemote] : networks)
        FillNetwork(AppendNetwork(network, false), networks.size() == 1);
    if (m_observer)
        m_observer->OnTreeChanged();
}

// A network always stands open; below it a chain of single children does.
void CBrowserTree::FillNetwork(TreeItem& network, bool isChain) {
    std::vector<unsigned> devices;
    m_directory.GetDevLst(devices, static_cast<std::uint16_t>(network.value));
    network.children.reserve(devices.size());
    for (const unsigned device : devices) {
        TreeItem& item =
            Append(network, TreeKind::Device, device, Labelled(m_directory.GetDev(device).GetName(), device));
        item.startsOpen = isChain && devices.size() == 1;
        m_devices[device] = &item;
    }
    Sort(network);
    network.startsOpen = true;
    network.isFilled = true;
}

void CBrowserTree::FillDevice(TreeItem& device) {
    std::set<BACSTAC_OBJECT_TYPE> types;
    m_directory.GetTypeLst(device.value, types);
    const unsigned vendor = m_directory.GetDevVendorId(device.value);
    for (const BACSTAC_OBJECT_TYPE type : types) {
        std::string name;
        CBACnetDir::GetObjTypeName(type, name, vendor);
        Append(device, TreeKind::Type, type, std::move(name)).startsOpen = device.startsOpen && types.size() == 1;
    }
}

void CBrowserTree::FillType(TreeItem& type) {
    const auto& objects = m_directory.GetDev(type.parent->value).GetObjects();
    auto object = std::ranges::lower_bound(objects, BACSTAC_OBJECT_ID{type.value, 0}, {}, &CBACnetObj::GetId);
    for (; object != objects.end() && object->GetId().Type == type.value; ++object)
        Append(type, TreeKind::Object, object->GetInst(), Labelled(object->GetName(), object->GetInst()));
    Sort(type);
}

void CBrowserTree::Sort(TreeItem& parent) {
    std::vector<std::string> labels;
    labels.reserve(parent.children.size());
    for (const auto& child : parent.children)
        labels.push_back(child->label);
    std::vector<std::unique_ptr<TreeItem>> sorted;
    sorted.reserve(labels.size());
    for (const std::size_t place : m_order.Order(labels)) {
        sorted.push_back(std::move(parent.children[place]));
        sorted.back()->row = static_cast<int>(sorted.size()) - 1;
    }
    parent.children = std::move(sorted);
}

const std::vector<std::unique_ptr<TreeItem>>& CBrowserTree::GetChildren(TreeItem& item) {
    if (!std::exchange(item.isFilled, true)) {
        if (item.kind == TreeKind::Device)
            FillDevice(item);
        else if (item.kind == TreeKind::Type)
            FillType(item);
    }
    return item.children;
}

TreeItem* CBrowserTree::FindDevice(unsigned device) const {
    const auto found = m_devices.find(device);
    return found == m_devices.end() ? nullptr : found->second;
}

TreeItem* CBrowserTree::FindChild(TreeItem* parent, std::uint32_t value) {
    if (parent == nullptr)
        return nullptr;
    const auto& children = GetChildren(*parent);
    const auto found = std::ranges::find(children, value, [](const auto& child) { return child->value; });
    return found == children.end() ? nullptr : found->get();
}

TreeItem* CBrowserTree::FindType(unsigned device, BACSTAC_OBJECT_TYPE type) {
    return FindChild(FindDevice(device), type);
}

TreeItem* CBrowserTree::FindObject(unsigned device, const BACSTAC_OBJECT_ID& object) {
    return FindChild(FindType(device, object.Type), object.Instance);
}

void CBrowserTree::SetImages(TreeItem& item, int image, int state) {
    item.image = image;
    item.state = state;
    if (m_observer)
        m_observer->OnItemChanged(item);
}

TreeItem& CBrowserTree::FindOrAddNetworkItem(std::uint16_t network) {
    TreeItem* const known = FindChild(&m_root, network);
    return known ? *known : AppendNetwork(network, true);
}

TreeItem& CBrowserTree::FindOrAddTypeItem(TreeItem& device, BACSTAC_OBJECT_TYPE type) {
    if (TreeItem* const known = FindChild(&device, type))
        return *known;
    std::string name;
    CBACnetDir::GetObjTypeName(type, name, 0);
    return AppendShown(device, TreeKind::Type, type, std::move(name));
}

std::string CBrowserTree::GetTooltip(const TreeItem& item) {
    switch (item.kind) {
    case TreeKind::Device:
        return "Device instance " + std::to_string(item.value) + "\n" + item.label;
    case TreeKind::Type:
        return "Object type " + std::to_string(item.value) + "\n" + item.label;
    case TreeKind::Object:
        return "Object instance " + std::to_string(item.value) + "\n" + item.label;
    default:
        return item.label;
    }
}

bool ResolveItem(const TreeItem* item, bool withObject, TreeIdentity& identity) {
    identity = {};
    for (; item != nullptr && item->kind != TreeKind::Root; item = item->parent) {
        switch (item->kind) {
        case TreeKind::Network:
            identity.network = static_cast<std::uint16_t>(item->value);
            break;
        case TreeKind::Device:
            identity.device = item->value;
            break;
        case TreeKind::Type:
            identity.object.Type = item->value;
            break;
        default:
            identity.object.Instance = item->value;
        }
        if (item->kind > TreeKind::Device && !withObject)
            return false;
    }
    if (withObject && identity.device != TreeIdentity::NONE &&
        identity.object == BACSTAC_OBJECT_ID{TreeIdentity::NONE, TreeIdentity::NONE})
        identity.object = {OBJ_DEVICE, identity.device};
    return identity.network != TreeIdentity::NO_NETWORK && identity.device != TreeIdentity::NONE;
}
